// Declaration-only stand-in for the managed bindings: Event.
package com.halvorn.vantrel;
import java.lang.annotation.*;
@Repeatable(Events.class)
public @interface Event { String name(); Database.EventType type(); }
