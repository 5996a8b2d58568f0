#!/bin/sh
# reuse_object.sh BUILD COMPILER ARGUMENT...: a compiler launcher that takes the library's objects
# from the build folder BUILD, where they were compiled from the same sources, instead of compiling
# them again: what is tried is the library as a part of another project.
set -eu
built=$1
shift
object=
previous=
for argument; do
  [ "$previous" = -o ] && object=$argument
  previous=$argument
done
case $object in
  qelkit/*)
    if [ -f "$built/${object#qelkit/}" ]; then
      cp "$built/${object#qelkit/}" "$object"
      exit 0
    fi
    echo "reuse_object: $object was not built yet" >&2
    ;;
esac
exec "$@"
