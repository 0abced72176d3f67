// Declaration-only stand-in for the managed bindings: OptionalStruct.
package com.halvorn.vantrel;
import java.lang.annotation.*;
public @interface OptionalStruct {}
