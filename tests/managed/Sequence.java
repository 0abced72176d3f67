// Declaration-only stand-in for the managed bindings: Sequence.
package com.halvorn.vantrel;
import java.lang.annotation.*;
public @interface Sequence {
  enum Type { UInt1, Int1, UInt2, Int2, UInt4, Int4, UInt8, Int8, Float, Double, DateTime, Char }
  enum Order { None, Ascending, Descending }
  Type type(); Order order(); int elemSize() default 0;
}
