package korvax.graphics.types;

/** A graphics object, named by its numeric handle. */
public final class OrbHandle extends NumberPeer {
  public OrbHandle(double handle) {
    super(handle);
  }

  public double getHandle() {
    return number(0);
  }
}
