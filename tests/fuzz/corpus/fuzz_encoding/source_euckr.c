#include <stdio.h>

/* 풀그림은 한 시스템에 접속처리를 하는 풀그림이다.  */
static int count_users(const char *name)
{
    int n = 0;
    while (*name++ != '\0')
        n++;
    return n;
}

// 또한 현재 접속 중에서도 한 사용자에서 다른 사용자로 바꾸고자 할 때도 
int main(int argc, char **argv)
{
    for (int i = 1; i < argc; i++)
        printf("%d\n", count_users(argv[i]));
    return 0;
}
