"""Builds the extension module `caudalis._caudalis` with the project's CMake build (see
pyproject.toml). The library the extension links is copied beside it in the package, where the
extension finds it by its run path ($ORIGIN), so the installed package needs nothing else of the
project. CMAKE_ARGS adds options to the configure step; CMAKE_BUILD_PARALLEL_LEVEL sets the jobs;
CAUDALIS_CMAKE_BUILD_DIR names a CMake tree of one's own to build in (kept between builds)."""
import os
import pathlib
import shutil
import subprocess
import sys

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

SOURCE_DIR = pathlib.Path(__file__).resolve().parent


class CMakeExtension(Extension):
    def __init__(self, name):
        super().__init__(name, sources=[])


class CMakeBuild(build_ext):
    def build_extension(self, ext):
        own_tree = os.environ.get("CAUDALIS_CMAKE_BUILD_DIR")
        build_dir = pathlib.Path(own_tree or pathlib.Path(self.build_temp) / "cmake").resolve()
        configure = ["cmake", "-S", str(SOURCE_DIR), "-B", str(build_dir), "-DCAUDALIS_PYTHON_BUNDLE_LIBRARY=ON",
                     f"-DPython3_EXECUTABLE={sys.executable}"]
        if not own_tree:  # a tree of one's own keeps its options
            configure += ["-DCMAKE_BUILD_TYPE=Release", "-DCAUDALIS_BUILD_TESTS=OFF", "-DCAUDALIS_BUILD_BENCHMARKS=OFF"]
        configure += os.environ.get("CMAKE_ARGS", "").split()
        subprocess.run(configure, check=True)
        jobs = os.environ.get("CMAKE_BUILD_PARALLEL_LEVEL", "2")
        subprocess.run(["cmake", "--build", str(build_dir), "--target", "caudalis_python", "-j", jobs], check=True)
        built = build_dir / "python" / "caudalis"
        target = pathlib.Path(self.get_ext_fullpath(ext.name)).resolve().parent
        target.mkdir(parents=True, exist_ok=True)
        for binary in built.glob("*.so*"):
            shutil.copyfile(binary, target / binary.name)


setup(ext_modules=[CMakeExtension("caudalis._caudalis")], cmdclass={"build_ext": CMakeBuild})
