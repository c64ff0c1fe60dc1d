#!/usr/bin/env python3
"""Builds causora_<version>_amd64.deb from the build folder, unpacks it with dpkg -x into a
fresh folder, validates its desktop entry and starts the unpacked program offscreen: once with
jog.ini beside it, and once, as a user who may not write the program's folder, with jog.ini in
that user's ~/.config/causora."""
import argparse
import glob
import os
import pwd
import shutil
import subprocess
import sys
import tempfile

SKIP = 77


def fail(why):
    print("FAIL: " + why)
    sys.exit(1)


def run(cmd, **kw):
    done = subprocess.run(cmd, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, **kw)
    if done.returncode != 0:
        fail("%s exited %d:\n%s" % (" ".join(cmd), done.returncode, done.stdout))
    return done.stdout


def settings_line(folder):
    return '"path=%s"\r\n' % folder


def start(program, env, as_user=None):
    """Starts the program offscreen until its main menu is painted; True when it said so."""
    env = dict(env, QT_QPA_PLATFORM="offscreen", CAUSORA_EXIT_WHEN_READY="1")
    env.pop("XDG_RUNTIME_DIR", None)
    cmd = [program]
    if as_user:
        cmd = ["setpriv", "--reuid", as_user, "--regid", str(pwd.getpwnam(as_user).pw_gid),
               "--clear-groups", "--"] + cmd
    try:
        done = subprocess.run(cmd, env=env, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                              text=True, timeout=120)
    except subprocess.TimeoutExpired:
        fail("%s did not reach its main menu (a message box may be waiting)" % program)
    if done.returncode != 0 or "ready" not in done.stdout.split():
        fail("%s exited %d; output %r, errors %r" % (program, done.returncode, done.stdout,
                                                     done.stderr))


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--cpack", required=True)
    parser.add_argument("--build", required=True)
    parser.add_argument("--version", required=True)
    args = parser.parse_args()
    for tool in ("dpkg-deb", "desktop-file-validate"):
        if shutil.which(tool) is None:
            print("SKIP: %s is not installed" % tool)
            return SKIP

    work = tempfile.mkdtemp(prefix="causora-package-")
    try:
        run([args.cpack, "-G", "DEB", "--config",
             os.path.join(args.build, "CPackConfig.cmake"), "-B", work])
        name = "causora_%s_amd64.deb" % args.version
        debs = [os.path.basename(p) for p in glob.glob(os.path.join(work, "*.deb"))]
        if debs != [name]:
            fail("expected %s, cpack made %s" % (name, debs))
        deb = os.path.join(work, name)
        depends = run(["dpkg-deb", "-f", deb, "Depends"])
        for package in ("libqt6widgets6", "libqt6sql6-sqlite", "libqt6printsupport6",
                        "libqt6serialport6"):
            if package not in depends:
                fail("the package does not depend on %s: %s" % (package, depends))

        root = os.path.join(work, "root")
        os.mkdir(root)
        run(["dpkg", "-x", deb, root])
        programs = [os.path.join(root, "usr/bin", p) for p in ("causora", "causora-prepare")]
        desktop = os.path.join(root, "usr/share/applications/causora.desktop")
        icon = os.path.join(root, "usr/share/icons/hicolor/scalable/apps/causora.svg")
        for path in programs + [desktop, icon]:
            if not os.path.isfile(path):
                fail("the package does not install " + os.path.relpath(path, root))
        for path in programs:
            if not os.access(path, os.X_OK):
                fail(os.path.relpath(path, root) + " is not executable")
        report = run(["desktop-file-validate", desktop])
        if report.strip():
            fail("desktop-file-validate: " + report)

        # A data folder made by the installed prepare tool, named by jog.ini beside the program.
        causora, prepare = programs
        data = os.path.join(work, "data")
        run([prepare, data])
        if not os.path.isfile(os.path.join(data, "causora.mdb")):
            fail("the prepare tool made no data file")
        bindir = os.path.dirname(causora)
        with open(os.path.join(bindir, "jog.ini"), "w", newline="") as ini:
            ini.write(settings_line(data))
        home = os.path.join(work, "home")
        os.mkdir(home)
        env = dict(os.environ, HOME=home)
        env.pop("XDG_CONFIG_HOME", None)
        start(causora, env)
        print("started with jog.ini beside the program")

        # Installed for the whole machine: the program's folder is not the user's to write,
        # and his own ~/.config/causora/jog.ini names the data folder.
        os.remove(os.path.join(bindir, "jog.ini"))
        own = os.path.join(home, ".config", "causora")
        os.makedirs(own)
        with open(os.path.join(own, "jog.ini"), "w", newline="") as ini:
            ini.write(settings_line(data))
        user = None
        if os.geteuid() == 0:
            # root may write anywhere: an ordinary user runs the program instead.
            if shutil.which("setpriv") is None:
                print("SKIP of the user's jog.ini: setpriv is not installed")
                return 0
            user = "nobody"
            uid = pwd.getpwnam(user).pw_uid
            for top in (data, home):
                for folder, _, files in os.walk(top):
                    for f in [folder] + [os.path.join(folder, n) for n in files]:
                        os.chown(f, uid, -1)
            os.chmod(work, 0o755)
        else:
            os.chmod(bindir, 0o555)
        start(causora, env, user)
        if os.path.exists(os.path.join(bindir, "jog.ini")):
            fail("a jog.ini appeared beside the program")
        print("started with the user's own jog.ini in ~/.config/causora")
    finally:
        if os.path.isdir(os.path.join(work, "root", "usr", "bin")):
            os.chmod(os.path.join(work, "root", "usr", "bin"), 0o755)
        shutil.rmtree(work, ignore_errors=True)
    return 0


if __name__ == "__main__":
    sys.exit(main())
