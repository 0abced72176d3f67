namespace N {
using System;
using Vantrel;

public enum level {
	low = 0,
	high = 1
};

public class wide { 
	public static Type[] types = { 
		typeof(Up),
		typeof(Down)
	};
}

[Persistent]
[Index("t", Type=Database.IndexType.BTree, Unique=true, Keys=new string[]{"n"})]
[Index("tg", Type=Database.IndexType.Trigram, Thick=true, Keys=new string[]{"st"})]
[Event("e1", EventType.OnNew)]
[Event("cp", EventType.OnCheckpoint)]
public class Up {
	public ulong agent_id;
	public ulong n;
	public level lv;
	[Sequence(Order=SequenceOrder.Ascending)]
	public OrderedSequence<double> sd;
	public UnorderedSequence<ushort> su;
	[Sequence(Order=SequenceOrder.Descending, ElemSize=8)]
	public OrderedSequence<char> sc;
	public UnorderedSequence<char> sb;
	[Encoding("UTF-16")]
	public string[] vn;
	[Encoding("UTF-16")]
	[Dimension(10)]
	public string nc;
	[Encoding("UTF-16")]
	public string ns;
	[Dimension(6)]
	public string bn;
	public string vb;
	[Dimension(2)]
	public P[] ps;
	public P[] vp;
	public zkt_datetime dt;
	public float fl;
	public short? s2;
	public bool flag;
	public string st;
	public bool s2_indicator;
}

[Persistent]
[Index("h", Type=Database.IndexType.Hashtable, InitSize=10, Unique=true, Keys=new string[]{"k"})]
[Event("da", EventType.OnDeleteAll)]
public class Down {
	public ulong agent_id;
	public int k;
}

public struct P {
	public int x;
	[Dimension(4)]
	public string tag;
}
}
