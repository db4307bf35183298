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

  /**
   * Runs the callback in the host, with the source and the event as their closest host arrays. The
   * callback's own errors arrive as a RuntimeException whose message begins with the identifier.
   */
  public native void fire(Object source, Object event);

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
