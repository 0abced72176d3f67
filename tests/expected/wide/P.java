package p.q;
import com.halvorn.vantrel.*;

public class P {
	public int x;
	@Dimension(4)
	public String tag;
}
