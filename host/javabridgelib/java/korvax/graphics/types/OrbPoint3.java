package korvax.graphics.types;

/** A point in space. */
public final class OrbPoint3 {
  private final double x;
  private final double y;
  private final double z;

  public OrbPoint3(double x, double y, double z) {
    this.x = x;
    this.y = y;
    this.z = z;
  }

  public double getX() {
    return x;
  }

  public double getY() {
    return y;
  }

  public double getZ() {
    return z;
  }

  @Override
  public boolean equals(Object object) {
    if (!(object instanceof OrbPoint3)) return false;
    OrbPoint3 other = (OrbPoint3) object;
    return Double.compare(x, other.x) == 0 && Double.compare(y, other.y) == 0 && Double.compare(z, other.z) == 0;
  }

  @Override
  public int hashCode() {
    return java.util.Arrays.deepHashCode(new Object[] {x, y, z});
  }

  @Override
  public String toString() {
    return "OrbPoint3[" + x + " " + y + " " + z + "]";
  }
}
