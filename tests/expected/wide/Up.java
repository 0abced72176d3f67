package p.q;
import com.halvorn.vantrel.*;
@Persistent
@IoT(type=IoT.Type.Uptable, srcAgentId="agent_id")
@Indexes({@Index(name="t", type=Database.IndexType.BTree, unique=true, keys={@Key("n")})
, @Index(name="tg", type=Database.IndexType.Trigram, thick=true, keys={@Key("st")})
})
@Event(name="e1", type=Database.EventType.OnNew)
@Event(name="cp", type=Database.EventType.OnCheckpoint)
public class Up {
	public long agent_id;
	public long n;
	public level lv;
	@Sequence(type=Sequence.Type.Double, order=Sequence.Order.Ascending)
	public OrderedSequence sd;
	@Sequence(type=Sequence.Type.UInt2, order=Sequence.Order.None)
	public UnorderedSequence su;
	@Sequence(type=Sequence.Type.Char, order=Sequence.Order.None, elemSize=8)
	public UnorderedSequence sc;
	@Sequence(type=Sequence.Type.Char, order=Sequence.Order.None, elemSize=4)
	public UnorderedSequence sb;
	@Encoding("UTF-16")
	public String[] vn;
	@Encoding("UTF-16")
	@Dimension(10)
	public String nc;
	@Encoding("UTF-16")
	public String ns;
	@Dimension(6)
	public String bn;
	public String vb;
	@Dimension(2)
	public P[] ps;
	public P[] vp;
	public DateTime dt;
	public float fl;
	public Short s2;
	public boolean flag;
	public String st;
	public boolean s2_indicator;
}

