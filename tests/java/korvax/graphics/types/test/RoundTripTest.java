package korvax.graphics.types.test;

import static org.junit.Assert.assertEquals;
import static org.junit.Assert.assertNull;
import static org.junit.Assert.assertSame;
import static org.junit.Assert.assertTrue;
import static org.junit.Assert.fail;

import java.awt.Point;
import java.awt.Rectangle;
import java.lang.reflect.InvocationTargetException;
import java.lang.reflect.Method;
import java.util.Arrays;
import java.util.Map;
import korvax.graphics.types.OrbCallback;
import korvax.graphics.types.OrbColor;
import korvax.graphics.types.OrbDouble;
import korvax.graphics.types.OrbPoint3;
import korvax.graphics.types.OrbRectangle;
import korvax.graphics.types.OrbUnsigned;
import org.junit.AfterClass;
import org.junit.BeforeClass;
import org.junit.Test;

/** Values of every family set from Java through the library and read back, in a plain Java machine. */
public class RoundTripTest {
  @BeforeClass
  public static void start() {
    Utils.initializeOrbdatatypesLib();
  }

  @AfterClass
  public static void stop() {
    Utils.cleanupOrbdatatypesLib();
  }

  /** Equal as Java values go: arrays by content, maps entry by entry, the rest by equals. */
  static boolean sameValue(Object a, Object b) {
    if (a instanceof Map && b instanceof Map) {
      Map<?, ?> first = (Map<?, ?>) a;
      Map<?, ?> second = (Map<?, ?>) b;
      if (!first.keySet().equals(second.keySet())) return false;
      for (Object key : first.keySet()) {
        if (!sameValue(first.get(key), second.get(key))) return false;
      }
      return true;
    }
    if (a instanceof Object[] && b instanceof Object[]) {
      Object[] first = (Object[]) a;
      Object[] second = (Object[]) b;
      if (first.length != second.length) return false;
      for (int i = 0; i < first.length; ++i) {
        if (!sameValue(first[i], second[i])) return false;
      }
      return true;
    }
    return java.util.Objects.deepEquals(a, b);
  }

  static Method tester(String type, String method, Class<?>... parameters) throws ReflectiveOperationException {
    Method found = Class.forName("korvax.graphics.types.test." + type + "NativeTester").getDeclaredMethod(method, parameters);
    found.setAccessible(true);
    return found;
  }

  static Object get(String type) throws ReflectiveOperationException {
    return tester(type, "get").invoke(null);
  }

  static void set(String type, Object value) throws Throwable {
    try {
      tester(type, "set", Object.class).invoke(null, value);
    } catch (InvocationTargetException thrown) {
      throw thrown.getCause();
    }
  }

  /** The identifier the library refused the value with. */
  static String refusal(String type, Object value) throws Throwable {
    try {
      set(type, value);
    } catch (IllegalArgumentException refused) {
      return refused.getMessage().split(":\\s", 2)[0];
    }
    fail(type + " accepted " + value);
    return null;
  }

  @Test
  public void everyTypeNamesItselfAndTakesBackWhatItGives() throws Throwable {
    for (String type : NativeTesters.TYPE_NAMES) {
      assertEquals("korvax.graphics.datatype." + type, tester(type, "getTypeName").invoke(null));
      Object given = get(type);
      if (type.equals("JavaPeer")) {
        assertNull("a Java peer refers to nothing at first", given);
        continue;
      }
      // Set once to settle: an empty default reads back as the type's own empty shape.
      set(type, given);
      Object settled = get(type);
      set(type, settled);
      assertTrue(type + " gave " + Arrays.deepToString(new Object[] {settled}) + " then "
              + Arrays.deepToString(new Object[] {get(type)}),
          sameValue(settled, get(type)));
    }
  }

  @Test
  public void familiesCrossAsTheirPeers() throws Throwable {
    Map<String, Object> mauve = new java.util.LinkedHashMap<>();
    mauve.put("mauve", new double[] {0.5, 0.2, 0.7});
    Object[][] cases = {
      {"Positive", new OrbDouble(0.5), new OrbDouble(0.5)},
      {"RGBAColor", new OrbColor(1, 0, 0, 0.5), new OrbColor(1, 0, 0, 0.5)},
      {"RGBAColor", "r", new OrbColor(1, 0, 0, 1)},
      {"RGBAColor", "none", "none"},
      {"LineStyle", "--", "--"},
      {"on_off", "on", "on"},
      {"Point2", new Point(3, 4), new Point(3, 4)},
      {"Point3", new OrbPoint3(1, 2, 3), new OrbPoint3(1, 2, 3)},
      {"Position", new OrbRectangle(0.25, 0.5, 0.125, 0.25), new OrbRectangle(0.25, 0.5, 0.125, 0.25)},
      {"Rectangle2", new Rectangle(1, 2, 3, 4), new Rectangle(1, 2, 3, 4)},
      {"ColorMap", new double[][] {{0, 0, 1}, {1, 0, 0}}, new double[][] {{0, 0, 1}, {1, 0, 0}}},
      {"PrimitiveColorData", new OrbUnsigned(8, new short[][] {{255}, {0}, {0}, {255}}),
        new OrbUnsigned(8, new short[][] {{255}, {0}, {0}, {255}})},
      {"Callback", new OrbCallback("disp"), new OrbCallback("disp")},
    };
    for (Object[] c : cases) {
      String type = (String) c[0];
      set(type, c[1]);
      assertTrue(type + " of " + c[1] + " read back " + get(type), sameValue(c[2], get(type)));
    }
    // A color table extension comes back within the whole table, a Map of colors.
    set("ColorTable", mauve);
    assertTrue(sameValue(mauve.get("mauve"), ((Map<?, ?>) get("ColorTable")).get("mauve")));
  }

  @Test
  public void aRefusedValueRaisesItsIdentifierAndKeepsTheValueHeld() throws Throwable {
    set("ZeroToOne", new OrbDouble(0.5));
    assertEquals("Korvax:datatypes:valueOutsideValidRange", refusal("ZeroToOne", new OrbDouble(2)));
    assertEquals(new OrbDouble(0.5), get("ZeroToOne"));
    assertEquals("Korvax:class:KorvaxConversionError", refusal("PositiveInteger", null));
    assertEquals("Korvax:datatypes:InvalidEnumValue", refusal("LineStyle", "dashdot"));
    assertEquals("Korvax:orb:shaped_arrays:ColorMapType", refusal("ColorMap", new double[][] {{0, 1}}));
    assertEquals("Korvax:class:KorvaxConversionError", refusal("ColorMap", new double[][] {{0, 0, 1}, {1}}));
  }

  @Test
  public void aJavaPeerHoldsTheVeryObject() throws Throwable {
    Object peer = new StringBuilder("peer");
    set("JavaPeer", peer);
    assertSame(peer, get("JavaPeer"));
    set("JavaPeer", null);
    assertNull(get("JavaPeer"));
  }
}
