"""Mounts a folder elsewhere: `stalling_mount.py <folder> <mount point>`. A stopped process does not answer."""

import os
import sys

import fusepy

STATUS = ("st_atime", "st_ctime", "st_gid", "st_mode", "st_mtime", "st_nlink", "st_size", "st_uid")


class StallingMount(fusepy.Operations):
    def __init__(self, folder):
        self._folder = folder

    def __call__(self, operation, path, *arguments):
        return fusepy.Operations.__call__(self, operation, self._folder + path, *arguments)

    def init(self, _path):
        print("mounted", flush=True)

    def getattr(self, path, _file=None):
        status = os.lstat(path)
        return {name: getattr(status, name) for name in STATUS}

    def readdir(self, path, _file):
        return [".", "..", *os.listdir(path)]

    def readlink(self, path):
        return os.readlink(path)

    def open(self, path, flags):
        return os.open(path, flags)

    def create(self, path, mode, _information=None):
        return os.open(path, os.O_RDWR | os.O_CREAT | os.O_EXCL, mode)

    def read(self, _path, size, offset, file):
        return os.pread(file, size, offset)

    def write(self, _path, data, offset, file):
        return os.pwrite(file, data, offset)

    def truncate(self, path, length, _file=None):
        os.truncate(path, length)

    def release(self, _path, file):
        os.close(file)

    def mkdir(self, path, mode):
        os.mkdir(path, mode)

    def unlink(self, path):
        os.unlink(path)

    def chmod(self, path, mode):
        os.chmod(path, mode)

    def rename(self, path, to):
        os.replace(path, self._folder + to)


def main():
    folder, place = sys.argv[1:]
    # The kernel must not cache anything: it would answer by itself.
    fusepy.FUSE(StallingMount(folder), place, foreground=True, attr_timeout=0, entry_timeout=0, negative_timeout=0)


if __name__ == "__main__":
    main()
