#ifndef ZKT_TARGET_INLINE 
#define ZKT_TARGET_INLINE  __inline
#endif


/*---------------------------------------------------------------------*/
/* Enumerations                                                        */

typedef enum color_
{
  red = 0,
  green = 5
} color;


/*---------------------------------------------------------------------*/
/* Handles and Class Codes                                             */

#ifndef ZKT_CPP_INTERFACE
typedef struct c_                  { ZKT_Hf h; }  c;
#else
class c;
#endif
#define                                           c_code                   1
#ifndef ZKT_CPP_INTERFACE
typedef struct dist_               { ZKT_Hf h; }  dist;
#else
class dist;
#endif
#define                                           dist_code                2
#ifndef ZKT_CPP_INTERFACE
typedef struct lonely_             { ZKT_Hf h; }  lonely;
#else
class lonely;
#endif
#define                                           lonely_code              3
#ifndef ZKT_CPP_INTERFACE
typedef struct V_                  { ZKT_Hf h; }  V;
#else
struct V;
#endif
typedef struct 
{
	double x;
	int4 y;
	char c[3];
	nchar_t w[4 / sizeof(nchar_t)];
	uint1 b[2];
}V_d;

#define  V_d_aligned_to_1  V_d

#ifndef ZKT_CPP_INTERFACE
typedef struct P_                  { ZKT_Hf h; }  P;
#else
struct P;
#endif
typedef struct 
{
	char code[3];
	uint1 level;
	int2 levels[4];
}P_d;

#pragma pack(1)
typedef struct 
{
	char code[3];
	uint1 level;
	int2 levels[4];
}P_d_aligned_to_1;
#pragma pack()

#ifndef ZKT_CPP_INTERFACE
typedef struct In_                 { ZKT_Hf h; }  In;
#else
struct In;
#endif

