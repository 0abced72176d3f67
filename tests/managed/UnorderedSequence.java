// Declaration-only stand-in for the managed bindings: UnorderedSequence.
package com.halvorn.vantrel;
public class UnorderedSequence {}
