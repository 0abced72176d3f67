import com.halvorn.vantrel.*;

public enum colour {
	red,
	blue
};

