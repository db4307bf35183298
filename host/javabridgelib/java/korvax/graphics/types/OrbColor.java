package korvax.graphics.types;

/** A color: red, green, blue and alpha, each from 0 to 1. */
public final class OrbColor {
  private final double red;
  private final double green;
  private final double blue;
  private final double alpha;

  public OrbColor(double red, double green, double blue, double alpha) {
    this.red = red;
    this.green = green;
    this.blue = blue;
    this.alpha = alpha;
  }

  public double getRed() {
    return red;
  }

  public double getGreen() {
    return green;
  }

  public double getBlue() {
    return blue;
  }

  public double getAlpha() {
    return alpha;
  }

  @Override
  public boolean equals(Object object) {
    if (!(object instanceof OrbColor)) return false;
    OrbColor other = (OrbColor) object;
    return Double.compare(red, other.red) == 0 && Double.compare(green, other.green) == 0 && Double.compare(blue, other.blue) == 0 && Double.compare(alpha, other.alpha) == 0;
  }

  @Override
  public int hashCode() {
    return java.util.Arrays.deepHashCode(new Object[] {red, green, blue, alpha});
  }

  @Override
  public String toString() {
    return "OrbColor[" + red + " " + green + " " + blue + " " + alpha + "]";
  }
}
