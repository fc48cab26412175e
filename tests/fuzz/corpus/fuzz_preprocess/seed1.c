N
#define N (4+4)*2
#if defined N && N > 2
typedef struct tagPOINT { int x; int y; } POINT, *PPOINT;
#endif
#define F(a,b) a##b #a
int F(x,
 y);
