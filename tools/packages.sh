# The Debian packages that each task needs. Sourced, not run.

build_packages=(cmake ninja-build g++ qtbase5-dev)
# A virtual desktop, pictures of it, and the real firmware image that a sample package is made of.
picture_packages=(xvfb openbox xdotool wmctrl x11-utils imagemagick opensbi)
test_packages=("${build_packages[@]}" "${picture_packages[@]}" clang-format python3 seabios
    librsvg2-bin icoutils desktop-file-utils appstream libxml2-utils shared-mime-info libglib2.0-bin
    man-db groff-base lintian dpkg-dev fakeroot hicolor-icon-theme)
fuzz_packages=("${build_packages[@]}" clang libclang-rt-14-dev)
