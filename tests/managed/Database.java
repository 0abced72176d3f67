// Declaration-only stand-in for the managed bindings: Database.
package com.halvorn.vantrel;
public class Database {
  public enum IndexType { BTree, Hashtable, RTree, Patricia, Trigram }
  public enum EventType { OnNew, OnDelete, OnDeleteAll, OnCheckpoint, OnUpdate, OnFieldUpdate }
}
