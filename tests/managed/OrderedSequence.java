// Declaration-only stand-in for the managed bindings: OrderedSequence.
package com.halvorn.vantrel;
public class OrderedSequence {}
