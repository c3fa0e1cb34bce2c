#!/usr/bin/env python3
"""An FTP server that keeps the first bytes of an upload and says that the whole arrived.

usage: lying_ftp_server.py ADDRESS BYTES [--no-size]

Prints its port, then every command that it gets. With --no-size it does not know SIZE.
"""
import socket
import socketserver
import sys

KEPT, KNOWS_SIZE = int(sys.argv[2]), '--no-size' not in sys.argv
ANSWERS = {'USER': '331 password', 'PASS': '230 in', 'PWD': '257 "/"', 'CWD': '250 ok', 'TYPE': '200 ok',
           'REST': '350 ok', 'RNFR': '350 ok', 'RNTO': '250 ok', 'QUIT': '221 bye'}


class Session(socketserver.StreamRequestHandler):
    def say(self, line):
        self.wfile.write((line + '\r\n').encode())

    def store(self, listener):
        self.say('150 go on')
        data, _ = listener.accept()
        while data.recv(1 << 16):
            pass
        data.close()
        self.say('226 all of it arrived')

    def handle(self):
        self.say('220 trust me')
        listener = socket.create_server((sys.argv[1], 0))
        for line in self.rfile:
            command = line.split()[0].decode().upper()
            print(command, flush=True)
            if command == 'EPSV':
                self.say(f'229 (|||{listener.getsockname()[1]}|)')
            elif command == 'STOR':
                self.store(listener)
            elif command == 'SIZE' and KNOWS_SIZE:
                self.say(f'213 {KEPT}')
            else:
                self.say(ANSWERS.get(command, '502 unknown'))


server = socketserver.ThreadingTCPServer((sys.argv[1], 0), Session)
print(server.server_address[1], flush=True)
server.serve_forever()
