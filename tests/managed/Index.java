// Declaration-only stand-in for the managed bindings: Index.
package com.halvorn.vantrel;
import java.lang.annotation.*;
public @interface Index {
  String name(); Database.IndexType type(); boolean unique() default false; boolean thick() default false;
  int initSize() default 0; Key[] keys();
}
