// Declaration-only stand-in for the managed bindings: Indexes.
package com.halvorn.vantrel;
import java.lang.annotation.*;
public @interface Indexes { Index[] value(); }
