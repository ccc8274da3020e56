/* Preloaded into Wine by bench/in_wine.sh: lets marked directories look names up by their index.
 *
 * Windows's directories ignore case and find a name, or that there is none, by one look-up. On a file system that
 * minds case Wine reads the whole directory for every name that is not there, which makes any export of n pages cost
 * n times n. Wine leaves that out for a directory on a FUSE file system that holds a file ".ciopfs", which says that
 * the file system ignores case by itself. This library reports every file system as FUSE; directories without the
 * mark stay as they are. */
#include <sys/syscall.h>
#include <sys/vfs.h>
#include <unistd.h>

#define FUSE_SUPER_MAGIC 0x65735546

int fstatfs(int descriptor, struct statfs* result) {
    int status = (int)syscall(SYS_fstatfs, descriptor, result);
    if (status == 0)
        result->f_type = FUSE_SUPER_MAGIC;
    return status;
}
