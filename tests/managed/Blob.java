// Declaration-only stand-in for the managed bindings: Blob.
package com.halvorn.vantrel;
import java.lang.annotation.*;
public @interface Blob {}
