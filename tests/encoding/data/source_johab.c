#include <stdio.h>

/* Î‰‹aŸ±·e Ðe ¯¡¯aÉQµA ¸ó­¢ÀáŸ¡Ÿi Ða“e Î‰‹aŸ±·¡”a.  */
static int count_users(const char *name)
{
    int n = 0;
    while (*name++ != '\0')
        n++;
    return n;
}

// ™¡Ðe Ñe¸ ¸ó­¢ º—µA¬á•¡ Ðe ¬a¶w¸aµA¬á ”aŸe ¬a¶w¸a¡ ¤aŽ‰¡¸a Ði ˜•¡ 
int main(int argc, char **argv)
{
    for (int i = 1; i < argc; i++)
        printf("%d\n", count_users(argv[i]));
    return 0;
}
