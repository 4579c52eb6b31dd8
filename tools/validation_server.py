#!/usr/bin/env python3
"""A small validation server for Lumenscope's online exchange.

It answers the two requests the program makes:

  POST /gpudb/s50.php           stores the form fields in an SQLite file, replies "[<row number>]"
  GET  /lumenscope/version.php  replies "[<version>]"

Run it for a local database and point the program at it:

  tools/validation_server.py serve --db gpudb.sqlite --port 8080
  build/lumenscope /online_host=http://127.0.0.1:8080

Other reply modes stand in for servers that misbehave (see --mode). With --port 0 (the default) it binds a
free port; either way it prints "listening on 127.0.0.1:<port>" once it accepts connections.

  tools/validation_server.py show --db gpudb.sqlite [--id N]

prints one stored submission (the newest without --id) as JSON: {"id": N, "fields": {name: value, ...}}.
"""

import argparse
import json
import os
import socket
import sqlite3
import sys
import threading
import time
import urllib.parse
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer

SUBMIT_PATH = "/gpudb/s50.php"
VERSION_PATH = "/lumenscope/version.php"
SILENT_HOLD_SECONDS = 600

MODES = {
    "store": "store submissions and answer with their number; answer the version",
    "text": "answer every request with --text as the body",
    "split": "answer as in store, the reply split over two packets --delay seconds apart",
    "delay": "answer as in store after --delay seconds",
    "silent": "read the request and never answer",
    "close": "close every connection at once, reading nothing",
}

SCHEMA = """
CREATE TABLE IF NOT EXISTS submission (
    id INTEGER PRIMARY KEY AUTOINCREMENT,
    received TEXT NOT NULL,
    user_agent TEXT
);
CREATE TABLE IF NOT EXISTS field (
    submission_id INTEGER NOT NULL REFERENCES submission(id),
    position INTEGER NOT NULL,
    name TEXT NOT NULL,
    value TEXT NOT NULL
);
"""


class Database:
    def __init__(self, path):
        self.path = path
        self.lock = threading.Lock()
        with self.connect() as connection:
            connection.executescript(SCHEMA)

    def connect(self):
        return sqlite3.connect(self.path)

    def store(self, fields, user_agent):
        with self.lock, self.connect() as connection:
            cursor = connection.execute(
                "INSERT INTO submission (received, user_agent) VALUES (?, ?)",
                (time.strftime("%Y-%m-%d %H:%M:%S"), user_agent))
            row = cursor.lastrowid
            connection.executemany(
                "INSERT INTO field (submission_id, position, name, value) VALUES (?, ?, ?, ?)",
                [(row, i, name, value) for i, (name, value) in enumerate(fields)])
            return row


class RecordingReader:
    """Passes reads through and keeps the bytes, so the request can be saved exactly as it came."""

    def __init__(self, stream):
        self.stream = stream
        self.bytes = bytearray()

    def readline(self, *args):
        line = self.stream.readline(*args)
        self.bytes += line
        return line

    def read(self, *args):
        data = self.stream.read(*args)
        self.bytes += data
        return data

    def __getattr__(self, name):
        return getattr(self.stream, name)


class Handler(BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"
    server_version = "validation-server"
    sys_version = ""

    def setup(self):
        super().setup()
        self.rfile = RecordingReader(self.rfile)

    def handle(self):
        if self.server.options.mode == "close":
            self.connection.close()
            return
        self.close_connection = True
        self.handle_one_request()

    def log_message(self, format, *args):
        if self.server.options.verbose:
            super().log_message(format, *args)

    def save_request(self):
        directory = self.server.options.capture
        if not directory:
            return
        with self.server.capture_lock:
            self.server.capture_count += 1
            number = self.server.capture_count
        path = os.path.join(directory, "request_%d.bin" % number)
        with open(path + ".part", "wb") as out:
            out.write(bytes(self.rfile.bytes))
        os.replace(path + ".part", path)

    def read_body(self):
        length = int(self.headers.get("Content-Length") or 0)
        return self.rfile.read(length) if length > 0 else b""

    def do_GET(self):
        self.save_request()
        if self.server.options.mode == "text":
            return self.reply(self.server.options.text)
        if self.path != VERSION_PATH:
            return self.reply("not here", status=404)
        self.reply("[%s]" % self.server.options.version)

    def do_POST(self):
        body = self.read_body()
        self.save_request()
        if self.server.options.mode == "text":
            return self.reply(self.server.options.text)
        if self.path != SUBMIT_PATH:
            return self.reply("not here", status=404)
        # Latin-1 keeps every byte a driver text may bring; a field given twice keeps both rows.
        fields = urllib.parse.parse_qsl(body.decode("latin-1"), keep_blank_values=True, encoding="latin-1")
        row = self.server.database.store(fields, self.headers.get("User-Agent"))
        self.reply("[%d]" % row)

    def reply(self, text, status=200):
        options = self.server.options
        if options.mode == "silent":
            self.hold_silently()
            return
        if options.mode == "delay":
            time.sleep(options.delay)
        body = text.encode("latin-1")
        head = ("HTTP/1.1 %d %s\r\nContent-Type: text/plain\r\nContent-Length: %d\r\nConnection: close\r\n\r\n"
                % (status, "OK" if status == 200 else "Not Found", len(body))).encode("latin-1")
        data = head + body
        try:
            if options.mode == "split":
                half = len(head) + len(body) // 2
                self.wfile.write(data[:half])
                self.wfile.flush()
                time.sleep(options.delay)
                self.wfile.write(data[half:])
            else:
                self.wfile.write(data)
            self.wfile.flush()
        except OSError:
            pass

    def hold_silently(self):
        """Keeps the connection open, answering nothing, until the client gives up."""
        self.connection.settimeout(1.0)
        deadline = time.monotonic() + SILENT_HOLD_SECONDS
        while time.monotonic() < deadline:
            try:
                if not self.connection.recv(4096):
                    return
            except socket.timeout:
                continue
            except OSError:
                return


def serve(options):
    if options.capture:
        os.makedirs(options.capture, exist_ok=True)
    server = ThreadingHTTPServer(("127.0.0.1", options.port), Handler)
    server.daemon_threads = True
    server.options = options
    server.database = Database(options.db)
    server.capture_lock = threading.Lock()
    server.capture_count = 0
    print("listening on 127.0.0.1:%d" % server.server_address[1], flush=True)
    try:
        server.serve_forever()
    except KeyboardInterrupt:
        pass
    return 0


def show(options):
    connection = sqlite3.connect(options.db)
    if options.id is None:
        row = connection.execute("SELECT MAX(id) FROM submission").fetchone()[0]
    else:
        row = options.id
    if row is None:
        print("no submission stored", file=sys.stderr)
        return 1
    fields = connection.execute(
        "SELECT name, value FROM field WHERE submission_id = ? ORDER BY position", (row,)).fetchall()
    if not fields:
        print("no submission %s" % row, file=sys.stderr)
        return 1
    json.dump({"id": row, "fields": dict(fields)}, sys.stdout, ensure_ascii=True, indent=1)
    print()
    return 0


def main():
    parser = argparse.ArgumentParser(description="Validation server for Lumenscope's online exchange.")
    commands = parser.add_subparsers(dest="command", required=True)

    run = commands.add_parser("serve", help="answer the program's requests",
                              formatter_class=argparse.RawDescriptionHelpFormatter,
                              epilog="modes:\n" + "\n".join("  %-7s %s" % item for item in MODES.items()))
    run.add_argument("--db", default="gpudb.sqlite", help="SQLite file of the submissions")
    run.add_argument("--port", type=int, default=0, help="port on 127.0.0.1; 0 picks a free one")
    run.add_argument("--mode", choices=sorted(MODES), default="store")
    run.add_argument("--text", default="", help="the reply body of mode text")
    run.add_argument("--version", default="1.26.0.0", help="the version the version request names")
    run.add_argument("--delay", type=float, default=1.0, help="seconds, for modes split and delay")
    run.add_argument("--capture", help="folder that receives each request's bytes as request_<n>.bin")
    run.add_argument("--verbose", action="store_true", help="log each request on standard error")

    read = commands.add_parser("show", help="print a stored submission as JSON")
    read.add_argument("--db", default="gpudb.sqlite")
    read.add_argument("--id", type=int, help="the submission's number; the newest without it")

    options = parser.parse_args()
    return serve(options) if options.command == "serve" else show(options)


if __name__ == "__main__":
    sys.exit(main())
