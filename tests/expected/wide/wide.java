package p.q;
import com.halvorn.vantrel.*;

public class wide { 
	public static Class[] classes = { 
	Up.class,
	Down.class
	};
}

