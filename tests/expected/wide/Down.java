package p.q;
import com.halvorn.vantrel.*;
@Persistent
@IoT(type=IoT.Type.Downtable, dstAgentId="agent_id")
@Indexes({@Index(name="h", type=Database.IndexType.Hashtable, initSize=10, unique=true, keys={@Key("k")})
})
@Event(name="da", type=Database.EventType.OnDeleteAll)
public class Down {
	public long agent_id;
	public int k;
}

