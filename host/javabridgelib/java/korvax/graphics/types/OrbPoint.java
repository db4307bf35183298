package korvax.graphics.types;

/** A point in the plane. */
public final class OrbPoint {
  private final double x;
  private final double y;

  public OrbPoint(double x, double y) {
    this.x = x;
    this.y = y;
  }

  public double getX() {
    return x;
  }

  public double getY() {
    return y;
  }

  @Override
  public boolean equals(Object object) {
    if (!(object instanceof OrbPoint)) return false;
    OrbPoint other = (OrbPoint) object;
    return Double.compare(x, other.x) == 0 && Double.compare(y, other.y) == 0;
  }

  @Override
  public int hashCode() {
    return java.util.Arrays.deepHashCode(new Object[] {x, y});
  }

  @Override
  public String toString() {
    return "OrbPoint[" + x + " " + y + "]";
  }
}
