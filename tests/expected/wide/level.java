package p.q;
import com.halvorn.vantrel.*;

public enum level {
	low,
	high
};

