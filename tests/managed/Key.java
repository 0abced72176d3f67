// Declaration-only stand-in for the managed bindings: Key.
package com.halvorn.vantrel;
import java.lang.annotation.*;
public @interface Key { String value(); boolean descending() default false; }
