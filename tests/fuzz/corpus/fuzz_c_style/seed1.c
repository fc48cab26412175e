#include <a.h>
int f(int a){if(a>0){return a*-2;}
/* c */ x="s";}
