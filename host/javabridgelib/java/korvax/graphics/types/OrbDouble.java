package korvax.graphics.types;

/** A number property value. */
public final class OrbDouble {
  private final double value;

  public OrbDouble(double value) {
    this.value = value;
  }

  public double getValue() {
    return value;
  }

  @Override
  public boolean equals(Object object) {
    if (!(object instanceof OrbDouble)) return false;
    OrbDouble other = (OrbDouble) object;
    return Double.compare(value, other.value) == 0;
  }

  @Override
  public int hashCode() {
    return java.util.Arrays.deepHashCode(new Object[] {value});
  }

  @Override
  public String toString() {
    return "OrbDouble[" + value + "]";
  }
}
