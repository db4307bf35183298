package korvax.graphics.types;

/**
 * An array of an unsigned integer class, which Java lacks: its values widened to the next signed type
 * (short[], int[] or long[], nested as the array's shape is; a 64-bit value above Long.MAX_VALUE keeps its
 * bit pattern), with the number of bits of the class it comes back as.
 */
public final class OrbUnsigned {
  private final int bits;
  private final Object values;

  public OrbUnsigned(int bits, Object values) {
    this.bits = bits;
    this.values = values;
  }

  public int getBits() {
    return bits;
  }

  public Object getValues() {
    return values;
  }

  @Override
  public boolean equals(Object object) {
    if (!(object instanceof OrbUnsigned)) return false;
    OrbUnsigned other = (OrbUnsigned) object;
    return bits == other.bits && java.util.Objects.deepEquals(values, other.values);
  }

  @Override
  public int hashCode() {
    return 31 * bits + java.util.Arrays.deepHashCode(new Object[] {values});
  }

  @Override
  public String toString() {
    return "OrbUnsigned[uint" + bits + " " + java.util.Arrays.deepToString(new Object[] {values}) + "]";
  }
}
