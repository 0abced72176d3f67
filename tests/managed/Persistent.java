// Declaration-only stand-in for the managed bindings: Persistent.
package com.halvorn.vantrel;
import java.lang.annotation.*;
@Retention(RetentionPolicy.RUNTIME)
public @interface Persistent {
  boolean disk() default false; boolean list() default false; boolean autoid() default false;
  boolean compact() default false; boolean local() default false; boolean distributed() default false;
}
