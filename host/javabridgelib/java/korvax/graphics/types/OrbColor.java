package korvax.graphics.types;

/** A color: red, green, blue and alpha, each from 0 to 1. */
public final class OrbColor extends NumberPeer {
  public OrbColor(double red, double green, double blue, double alpha) {
    super(red, green, blue, alpha);
  }

  public double getRed() {
    return number(0);
  }

  public double getGreen() {
    return number(1);
  }

  public double getBlue() {
    return number(2);
  }

  public double getAlpha() {
    return number(3);
  }
}
