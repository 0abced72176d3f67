import com.halvorn.vantrel.*;
@Persistent(disk=true,autoid=true)
@Indexes({@Index(name="by_code", type=Database.IndexType.BTree, unique=true, keys={@Key("code")})
, @Index(name="by_name", type=Database.IndexType.BTree, thick=true, keys={@Key("name")})
})
@Event(name="added", type=Database.EventType.OnNew)
@Event(name="gone", type=Database.EventType.OnDelete)
public class Item {
	public int code;
	public String name;
	public Double weight;
	public Price price;
	@OptionalStruct
	public Price old;
	public String[] tags;
	@Dimension(3)
	public short[] dims;
	@Blob
	public byte[] photo;
	public long parent;
	public boolean weight_indicator;
}

