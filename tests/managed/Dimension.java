// Declaration-only stand-in for the managed bindings: Dimension.
package com.halvorn.vantrel;
import java.lang.annotation.*;
public @interface Dimension { int value(); }
