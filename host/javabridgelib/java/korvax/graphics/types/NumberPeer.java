package korvax.graphics.types;

import java.util.Arrays;

/** A peer made of a fixed list of numbers: equal to a peer of the same class with the same numbers. */
abstract class NumberPeer {
  private final double[] numbers;

  NumberPeer(double... numbers) {
    this.numbers = numbers;
  }

  final double number(int index) {
    return numbers[index];
  }

  @Override
  public final boolean equals(Object object) {
    return object != null && object.getClass() == getClass() && Arrays.equals(numbers, ((NumberPeer) object).numbers);
  }

  @Override
  public final int hashCode() {
    return 31 * getClass().hashCode() + Arrays.hashCode(numbers);
  }

  @Override
  public final String toString() {
    StringBuilder text = new StringBuilder(getClass().getSimpleName()).append('[');
    for (int i = 0; i < numbers.length; ++i) text.append(i == 0 ? "" : " ").append(numbers[i]);
    return text.append(']').toString();
  }
}
