// Declaration-only stand-in for the managed bindings: Events.
package com.halvorn.vantrel;
import java.lang.annotation.*;
public @interface Events { Event[] value(); }
