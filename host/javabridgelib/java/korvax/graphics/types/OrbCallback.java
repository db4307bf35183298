package korvax.graphics.types;

/** The code a graphics object runs on an event, in its array form (a String, an OrbFunctionHandle or an Object[] of a function and its arguments). */
public final class OrbCallback {
  private final Object callbackObject;

  public OrbCallback(Object callbackObject) {
    this.callbackObject = callbackObject;
  }

  public Object getCallbackObject() {
    return callbackObject;
  }

  @Override
  public boolean equals(Object object) {
    if (!(object instanceof OrbCallback)) return false;
    OrbCallback other = (OrbCallback) object;
    return java.util.Objects.deepEquals(callbackObject, other.callbackObject);
  }

  @Override
  public int hashCode() {
    return java.util.Arrays.deepHashCode(new Object[] {callbackObject});
  }

  @Override
  public String toString() {
    return "OrbCallback" + java.util.Arrays.deepToString(new Object[] {callbackObject});
  }
}
