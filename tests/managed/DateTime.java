// Declaration-only stand-in for the managed bindings: DateTime.
package com.halvorn.vantrel;
public class DateTime {}
