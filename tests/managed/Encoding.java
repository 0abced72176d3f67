// Declaration-only stand-in for the managed bindings: Encoding.
package com.halvorn.vantrel;
import java.lang.annotation.*;
public @interface Encoding { String value(); }
