package korvax.graphics.types;

/** A point in space. */
public final class OrbPoint3 extends NumberPeer {
  public OrbPoint3(double x, double y, double z) {
    super(x, y, z);
  }

  public double getX() {
    return number(0);
  }

  public double getY() {
    return number(1);
  }

  public double getZ() {
    return number(2);
  }
}
