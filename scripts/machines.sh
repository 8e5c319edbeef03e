# Sourced by the other scripts: the machines that are built for by Debian's cross compilers and tried under emulators.
#   describe_machine NAME    sets machine, debian_name, triplet, processor, emulator and compiler
#   install_for_machine      installs compiler and emulator where they are missing
#   configure_for_machine BUILD [ARGUMENTS FOR CMAKE]
#   on_machine PROGRAM [ARGUMENTS]

all_machines='arm64 armhf i386 i386-clang riscv64 s390x'

describe_machine() {
    machine=$1
    debian_name=${machine%-clang}
    case $debian_name in
    arm64) processor=aarch64 triplet=aarch64-linux-gnu ;;
    armhf) processor=arm triplet=arm-linux-gnueabihf ;;
    i386) processor=i386 triplet=i686-linux-gnu ;;
    riscv64) processor=riscv64 triplet=riscv64-linux-gnu ;;
    s390x) processor=s390x triplet=s390x-linux-gnu ;;
    *) echo "$machine is none of: $all_machines" >&2; exit 1 ;;
    esac
    emulator=qemu-$processor compiler=$triplet-g++
    # clang takes the C++ library from Debian's cross compiler.
    if [ "$machine" != "$debian_name" ]; then compiler=clang++; fi
}

install_for_machine() {
    install_missing "$triplet-g++:g++-$triplet" "$compiler:clang" "$emulator:qemu-user" cmake:cmake ninja:ninja-build ccache:ccache
}

configure_for_machine() { # build folder, arguments for cmake
    build_folder=$1
    shift
    if [ "$compiler" = clang++ ]; then set -- -DCMAKE_CXX_COMPILER_TARGET="$triplet" "$@"; fi
    cmake -S "$root" -B "$build_folder" -G Ninja -DCMAKE_SYSTEM_NAME=Linux \
        -DCMAKE_SYSTEM_PROCESSOR="$processor" -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_CXX_COMPILER_LAUNCHER=ccache \
        "-DCMAKE_CROSSCOMPILING_EMULATOR=$emulator;-L;/usr/$triplet" -DWARNINGS_AS_ERRORS=ON "$@"
}

on_machine() { "$emulator" -L "/usr/$triplet" "$@"; }
