using System;
using Vantrel;

public enum colour {
	red = 0,
	blue = 1
};

public class shop { 
	public static Type[] types = { 
		typeof(Item)
	};
}

[Persistent(Disk=true,AutoID=true)]
[Index("by_code", Type=Database.IndexType.BTree, Unique=true, Keys=new string[]{"code"})]
[Index("by_name", Type=Database.IndexType.BTree, Thick=true, Keys=new string[]{"name"})]
[Event("added", EventType.OnNew)]
[Event("gone", EventType.OnDelete)]
public class Item {
	public uint code;
	public string name;
	public double? weight;
	public Price price;
	[Optional]
	public Price old;
	public string[] tags;
	[Dimension(3)]
	public short[] dims;
	[Blob]
	public byte[] photo;
	public ulong parent;
	public bool weight_indicator;
}

public struct Price {
	public int cents;
	[Dimension(3)]
	public string cur;
}
