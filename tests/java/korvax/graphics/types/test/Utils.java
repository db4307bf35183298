package korvax.graphics.types.test;

/** Starts and stops the data type library inside a plain Java program, as the host would. */
public final class Utils {
  static {
    System.loadLibrary("orbdatatypes_jni");
  }

  private Utils() {}

  public static native void initializeOrbdatatypesLib();

  public static native void cleanupOrbdatatypesLib();
}
