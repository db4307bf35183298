package korvax.graphics.types;

/** A point in the plane. */
public final class OrbPoint extends NumberPeer {
  public OrbPoint(double x, double y) {
    super(x, y);
  }

  public double getX() {
    return number(0);
  }

  public double getY() {
    return number(1);
  }
}
