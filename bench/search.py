#!/usr/bin/python3
"""A search's time over that of the bare curl command, against the local geocoder.

    bench/search.py [BUILD-FOLDER]     (default build/bench)"""
import os
import pathlib
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
BUILD = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else ROOT / "build" / "bench")

with tempfile.TemporaryDirectory() as folder:
    geocoder = subprocess.Popen([ROOT / "sandbox" / "geocoder", "--folder", folder],
                                stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
    port = geocoder.stdout.readline().split()[1]
    environment = {**os.environ, "https_proxy": f"http://127.0.0.1:{port}", "no_proxy": "",
                   "CURL_CA_BUNDLE": f"{folder}/authority.pem", "HOME": folder}
    status = subprocess.run([BUILD / "bin" / "bench_search"], env=environment).returncode
    geocoder.stdin.close()
    geocoder.wait()
sys.exit(status)
