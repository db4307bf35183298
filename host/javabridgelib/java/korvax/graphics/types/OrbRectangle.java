package korvax.graphics.types;

/** A rectangle: its corner, width and height. */
public final class OrbRectangle {
  private final double x;
  private final double y;
  private final double width;
  private final double height;

  public OrbRectangle(double x, double y, double width, double height) {
    this.x = x;
    this.y = y;
    this.width = width;
    this.height = height;
  }

  public double getX() {
    return x;
  }

  public double getY() {
    return y;
  }

  public double getWidth() {
    return width;
  }

  public double getHeight() {
    return height;
  }

  @Override
  public boolean equals(Object object) {
    if (!(object instanceof OrbRectangle)) return false;
    OrbRectangle other = (OrbRectangle) object;
    return Double.compare(x, other.x) == 0 && Double.compare(y, other.y) == 0 && Double.compare(width, other.width) == 0 && Double.compare(height, other.height) == 0;
  }

  @Override
  public int hashCode() {
    return java.util.Arrays.deepHashCode(new Object[] {x, y, width, height});
  }

  @Override
  public String toString() {
    return "OrbRectangle[" + x + " " + y + " " + width + " " + height + "]";
  }
}
