package korvax.graphics.types;

/** A graphics object, named by its numeric handle. */
public final class OrbHandle {
  private final double handle;

  public OrbHandle(double handle) {
    this.handle = handle;
  }

  public double getHandle() {
    return handle;
  }

  @Override
  public boolean equals(Object object) {
    if (!(object instanceof OrbHandle)) return false;
    OrbHandle other = (OrbHandle) object;
    return Double.compare(handle, other.handle) == 0;
  }

  @Override
  public int hashCode() {
    return java.util.Arrays.deepHashCode(new Object[] {handle});
  }

  @Override
  public String toString() {
    return "OrbHandle[" + handle + "]";
  }
}
