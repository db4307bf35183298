package korvax.graphics.types;

/** A number property value. */
public final class OrbDouble extends NumberPeer {
  public OrbDouble(double value) {
    super(value);
  }

  public double getValue() {
    return number(0);
  }
}
