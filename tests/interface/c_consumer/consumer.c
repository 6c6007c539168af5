/* A host in ten lines: built against the installed tree, as C11. */
#include <stdio.h>
#include <vkrHdr.h>

int main(void)
{
    vkrHdrInitParam param = {0};
    const vkrHdrVersion* version = vkrHdrGetVersion();
    param.nMode = 1;
    if (vkrHdrInit(param) != -1 || vkrHdrAdvancedFeature() != 0 || vkrHdrUninit() != 0) return 1;
    printf("%s\n", version->pVersion);
    return version->nVersion[0] == 1 ? 0 : 1;
}
