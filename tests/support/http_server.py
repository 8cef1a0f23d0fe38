#!/usr/bin/python3
"""A local web server for the download tests, never reachable from outside.

Serves ROOT on 127.0.0.1 at a free port and prints the port on a line of its
own once it listens; it runs until killed. With --tls it speaks https with the test certificate of
tests/data/tls (self-signed for 127.0.0.1: refused unless a client trusts it).

Besides the files under ROOT:
  /stream/NAME    the file NAME without a Content-Length, in 64 KiB pieces,
                  so only counting while receiving can tell its size
  /endless        zeros until the client hangs up
  /stall          accepts the request and never answers
  /redirect/N     N redirects in a row, then /sample.aspectratio
"""
import argparse
import http.server
import os
import ssl
import time

CHUNK = 64 * 1024


class Handler(http.server.SimpleHTTPRequestHandler):
    def do_GET(self):
        routes = {"/stream/": self.stream, "/endless": self.endless, "/stall": self.stall,
                  "/redirect/": self.redirect}
        for prefix, route in routes.items():
            if self.path.startswith(prefix):
                try:
                    route(self.path[len(prefix):])
                except (BrokenPipeError, ConnectionResetError):
                    pass  # the client stopped the transfer, as it should
                return
        super().do_GET()

    def copyfile(self, source, outputfile):
        try:
            super().copyfile(source, outputfile)
        except (BrokenPipeError, ConnectionResetError):
            pass  # a client past its size limit hangs up mid-file

    def start_body(self):
        self.send_response(200)
        self.send_header("Content-Type", "application/octet-stream")
        self.send_header("Connection", "close")
        self.end_headers()
        self.close_connection = True

    def stream(self, name):
        path = os.path.join(self.directory, os.path.basename(name))
        if not os.path.isfile(path):
            self.send_error(404)
            return
        self.start_body()
        with open(path, "rb") as source:
            while piece := source.read(CHUNK):
                self.wfile.write(piece)

    def endless(self, _):
        self.start_body()
        zeros = bytes(CHUNK)
        while True:
            self.wfile.write(zeros)

    def stall(self, _):
        time.sleep(600)

    def redirect(self, count):
        remaining = int(count or 0)
        self.send_response(302)
        target = f"/redirect/{remaining - 1}" if remaining > 1 else "/sample.aspectratio"
        self.send_header("Location", target)
        self.send_header("Content-Length", "0")
        self.end_headers()

    def log_message(self, *_):
        pass


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("root")
    parser.add_argument("--tls", action="store_true")
    options = parser.parse_args()

    def handler(*args, **kwargs):
        return Handler(*args, directory=options.root, **kwargs)

    server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), handler)
    server.daemon_threads = True
    if options.tls:
        tls = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "data", "tls")
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(os.path.join(tls, "localhost-cert.pem"), os.path.join(tls, "localhost-key.pem"))
        server.socket = context.wrap_socket(server.socket, server_side=True)
    print(server.server_address[1], flush=True)
    server.serve_forever()


if __name__ == "__main__":
    main()
