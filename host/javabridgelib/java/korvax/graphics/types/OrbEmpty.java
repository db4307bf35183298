package korvax.graphics.types;

/**
 * An empty array whose shape nested Java arrays cannot keep (0-by-3, say: an array of no rows has no
 * row length): its class name ("double", "uint8", "cell", ...) and its dimensions.
 */
public final class OrbEmpty {
  private final String className;
  private final int[] dimensions;

  public OrbEmpty(String className, int[] dimensions) {
    this.className = className;
    this.dimensions = dimensions.clone();
  }

  public String getClassName() {
    return className;
  }

  public int[] getDimensions() {
    return dimensions.clone();
  }

  @Override
  public boolean equals(Object object) {
    if (!(object instanceof OrbEmpty)) return false;
    OrbEmpty other = (OrbEmpty) object;
    return className.equals(other.className) && java.util.Arrays.equals(dimensions, other.dimensions);
  }

  @Override
  public int hashCode() {
    return 31 * className.hashCode() + java.util.Arrays.hashCode(dimensions);
  }

  @Override
  public String toString() {
    StringBuilder shape = new StringBuilder();
    for (int dimension : dimensions) shape.append(shape.length() == 0 ? "" : "x").append(dimension);
    return "OrbEmpty[" + shape + " " + className + "]";
  }
}
