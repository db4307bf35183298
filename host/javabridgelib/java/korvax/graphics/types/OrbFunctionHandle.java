package korvax.graphics.types;

/** A function handle, named by its function. */
public final class OrbFunctionHandle {
  private final String name;

  public OrbFunctionHandle(String name) {
    this.name = name;
  }

  public String getName() {
    return name;
  }

  @Override
  public boolean equals(Object object) {
    if (!(object instanceof OrbFunctionHandle)) return false;
    OrbFunctionHandle other = (OrbFunctionHandle) object;
    return java.util.Objects.deepEquals(name, other.name);
  }

  @Override
  public int hashCode() {
    return java.util.Arrays.deepHashCode(new Object[] {name});
  }

  @Override
  public String toString() {
    return "OrbFunctionHandle[@" + name + "]";
  }
}
