import com.halvorn.vantrel.*;

public class Price {
	public int cents;
	@Dimension(3)
	public String cur;
}
