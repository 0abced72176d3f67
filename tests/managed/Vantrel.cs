// Declaration-only stand-ins for the managed bindings that a generated {db}.cs names.
using System;

namespace Vantrel {
  public class Database {
    public enum IndexType { BTree, Hashtable, RTree, Patricia, Trigram }
  }
  public enum EventType { OnNew, OnDelete, OnDeleteAll, OnCheckpoint, OnUpdate, OnFieldUpdate }
  public enum SequenceOrder { Ascending, Descending }
  public class PersistentAttribute : Attribute {
    public bool Disk, List, AutoID, Compact, Local, Distributed;
  }
  [AttributeUsage(AttributeTargets.Class, AllowMultiple = true)]
  public class IndexAttribute : Attribute {
    public IndexAttribute(string name) {}
    public Database.IndexType Type;
    public bool Unique, Thick;
    public int InitSize;
    public string[] Keys, Order;
  }
  [AttributeUsage(AttributeTargets.Class | AttributeTargets.Field, AllowMultiple = true)]
  public class EventAttribute : Attribute { public EventAttribute(string name, EventType type) {} }
  public class DimensionAttribute : Attribute { public DimensionAttribute(int n) {} }
  public class EncodingAttribute : Attribute { public EncodingAttribute(string e) {} }
  public class BlobAttribute : Attribute {}
  public class OptionalAttribute : Attribute {}
  public class SequenceAttribute : Attribute { public SequenceOrder Order; public int ElemSize; }
  public struct zkt_datetime {}
  public class OrderedSequence<T> {}
  public class UnorderedSequence<T> {}
}
