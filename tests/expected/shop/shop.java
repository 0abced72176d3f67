import com.halvorn.vantrel.*;

public class shop { 
	public static Class[] classes = { 
	Item.class
	};
}

