// Declaration-only stand-in for the managed bindings: IoT.
package com.halvorn.vantrel;
import java.lang.annotation.*;
public @interface IoT {
  enum Type { Uptable, Downtable }
  Type type(); String srcAgentId() default ""; String dstAgentId() default "";
}
