# Notes are worth knowing but not faults. They are shown on request and never change the exit status.
algdata check damaged/empty.txt
algdata check damaged/empty.txt --notes
algdata check damaged/scanningMacs.txt --notes --where severity=note
algdata check damaged/timeDelayClamped.txt --notes --format csv
