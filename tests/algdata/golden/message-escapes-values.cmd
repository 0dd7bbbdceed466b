algdata show good --kind $'\033]0;title\a'
algdata show good --format $'\033[31m'
algdata show good --where $'\033[31m'
algdata show good --where $'a\nb=1'
algdata show good --columns $'\033[31m'
algdata show good --columns $'\xe2\x80\xaegnp.txt'
algdata show good $'--\033[31m'
algdata check --explain $'\033[31m'
algdata $'\033[31m'
printf '[{"\\u001b[31m\\n":1}]' | algdata import -k ap-rank -
printf '[\033[31m]' | algdata import -k ap-rank -
