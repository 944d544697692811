"""Builds the compiled part of the Python package (steeldesign._core) with CMake.

pip runs this through setuptools (`pip install --no-build-isolation .`). CMake configures a build of its
own in setuptools' temporary folder (Release, without tests), or, when STEELDESIGN_CMAKE_BUILD_DIR names
a configured build folder, builds the module there and takes it from it (what the tests do, so that the
module is not compiled twice)."""

import os
import shutil
import subprocess
import sys
from pathlib import Path

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

SOURCE = Path(__file__).resolve().parent


class CMakeBuild(build_ext):
    def build_extension(self, ext):
        given = os.environ.get("STEELDESIGN_CMAKE_BUILD_DIR")
        if given:
            build = Path(given).resolve()
            if not (build / "CMakeCache.txt").exists():
                raise RuntimeError(f"STEELDESIGN_CMAKE_BUILD_DIR: {build} is not a configured CMake build folder")
        else:
            build = Path(self.build_temp).resolve() / "cmake"
            subprocess.run(["cmake", "-S", str(SOURCE), "-B", str(build), "-DCMAKE_BUILD_TYPE=Release",
                            "-DSTEELDESIGN_BUILD_TESTS=OFF", f"-DPython3_EXECUTABLE={sys.executable}"], check=True)
        jobs = str(os.cpu_count() or 1)
        subprocess.run(["cmake", "--build", str(build), "--target", "steeldesign-python", "-j", jobs], check=True)
        built = sorted((build / "python" / "steeldesign").glob("_core*.so"))
        if not built:
            raise RuntimeError(f"the module steeldesign._core was not built in {build}")
        target = Path(self.get_ext_fullpath(ext.name))
        target.parent.mkdir(parents=True, exist_ok=True)
        shutil.copyfile(built[0], target)


# setuptools' own build folder inside CMake's usual one (build/, ignored by git), not beside it.
setup(ext_modules=[Extension("steeldesign._core", sources=[])], cmdclass={"build_ext": CMakeBuild},
      options={"build": {"build_base": "build/pip"}})
