#!/usr/bin/env python3
"""Another application that holds a camera: takes control of it and keeps it by its heartbeat, until it is ended."""

import socket
import struct
import sys

GVCP_PORT = 3956
CONTROL_CHANNEL_PRIVILEGE = 0x0A00
CONTROL = 2
READREG, WRITEREG = 0x0080, 0x0082


def ask(camera, request_id, command, payload):
    """Sends a command up to three times and gives what stands behind the header of its acknowledge."""
    packet = struct.pack(">BBHHH", 0x42, 0x01, command, len(payload), request_id) + payload
    for _ in range(3):
        camera.send(packet)
        try:
            answer = camera.recv(576)
        except TimeoutError:
            continue
        status, code, _, answer_id = struct.unpack(">HHHH", answer[:8])
        if code == command + 1 and answer_id == request_id:
            if status:
                sys.exit(f"the camera refused with status {status:#06x}")
            return answer[8:]
    sys.exit("the camera does not answer")


def main():
    camera = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
    camera.settimeout(0.5)
    camera.connect((sys.argv[1], GVCP_PORT))
    ask(camera, 1, WRITEREG, struct.pack(">II", CONTROL_CHANNEL_PRIVILEGE, CONTROL))
    print("held", flush=True)
    request_id = 1
    while True:
        try:
            camera.recv(576)  # nothing comes: this is the pause between two heartbeats
        except TimeoutError:
            pass
        request_id = request_id % 0xFFFF + 1
        ask(camera, request_id, READREG, struct.pack(">I", CONTROL_CHANNEL_PRIVILEGE))


if __name__ == "__main__":
    main()
