package korvax.graphics.types;

/** A rectangle: its corner, width and height. */
public final class OrbRectangle extends NumberPeer {
  public OrbRectangle(double x, double y, double width, double height) {
    super(x, y, width, height);
  }

  public double getX() {
    return number(0);
  }

  public double getY() {
    return number(1);
  }

  public double getWidth() {
    return number(2);
  }

  public double getHeight() {
    return number(3);
  }
}
