cp home/* "$scratch"
cd "$scratch" || exit
sed -i 's/0a4e00000004 0a4e00000002/0a4e00000004 0a4e00000099/' ./*.txt
sed -i 's/ 2 240/ 9 240/; s/ 1 860/ 7 860/' ap_rank_index.txt
mv ap_rank_index.txt 'index of [1] %é.txt'
algdata audit . --format sarif > audit.sarif
python3 -c '
import json
log = json.load(open("audit.sarif"))
run = log["runs"][0]
print(log["version"], run["tool"]["driver"]["name"], run["invocations"])
for rule in run["tool"]["driver"]["rules"]:
    print(rule["id"], rule["defaultConfiguration"]["level"], *sorted(rule))
for result in run["results"]:
    print(result["ruleId"], result["level"], result["message"]["text"])
    print("   ", result["locations"][0]["physicalLocation"], *result["partialFingerprints"])
'
algdata audit . --format sarif --summary
algdata audit . --format sarif --columns rule
algdata audit missing.txt --format sarif | tail -n 4
