# The prompt on a terminal: queries on several lines, its own commands, errors, the history.
export HOME=$scratch XDG_STATE_HOME=
cat > $scratch/ask.py <<'P'
import os, pty, sys, time

program = ["algdata", "sql", "good"]
steps = ["SELECT srcMAC, timeout\n", "FROM alg_output;\n", ".format record\n", "SELECT * FROM alg_output;\n",
         "SELECT rsi FROM score_band;\n", ".schema alg_output\n", ".nosuch\n", ".format x\n",
         "WITH n AS (SELECT 1 UNION ALL SELECT 1 FROM n)\n", "SELECT count(*) FROM n;\n", "\x03",
         "SELECT 'forgotten\n", "\x03", "SELECT 5 AS five;\n", "\x04"]
child, terminal = pty.fork()
if child == 0:
    os.execvp(program[0], program)

def read_until_prompt():
    text = b""
    while not text.endswith((b"algdata> ", b"...> ")):
        try:
            part = os.read(terminal, 4096)
        except OSError:
            break
        if not part:
            break
        text += part
    return text

shown = read_until_prompt()
for step in steps:
    time.sleep(0.1)  # until the prompt has the terminal
    os.write(terminal, step.encode())
    if step.startswith("SELECT count"):
        time.sleep(0.5)
        continue
    shown += read_until_prompt()
_, status = os.waitpid(child, 0)
sys.stdout.write(shown.decode().replace("\r", ""))
print("status", os.waitstatus_to_exitcode(status))
P
python3 $scratch/ask.py | sed 's/\x1b\[[0-9;?]*[a-zA-Z]//g'
cat $scratch/.local/state/algdata/sql_history | head -3
